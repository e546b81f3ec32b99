# The rules of shipping.
list(APPEND TILLORA_RULES_SOURCES
  rules/shipping/ShipData.cpp
  rules/shipping/ShipList.cpp
  rules/shipping/ShopBarcode.cpp)

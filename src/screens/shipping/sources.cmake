# The screens of shipping.
list(APPEND TILLORA_SCREENS_SOURCES
  screens/shipping/ShippingScreens.cpp
  screens/shipping/frmShipInput.cpp
  screens/shipping/frmShipList.cpp)

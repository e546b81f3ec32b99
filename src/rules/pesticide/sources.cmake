# The rules of pesticide.
list(APPEND TILLORA_RULES_SOURCES
  rules/pesticide/ChemiData.cpp
  rules/pesticide/ChemiStock.cpp
  rules/pesticide/SprayCheck.cpp)

# The rules of planting.
list(APPEND TILLORA_RULES_SOURCES
  rules/planting/PlantData.cpp
  rules/planting/PlantEntry.cpp)

# The screens of planting.
list(APPEND TILLORA_SCREENS_SOURCES
  screens/planting/PlantScreens.cpp
  screens/planting/frmPlantInput.cpp
  screens/planting/frmPlantList.cpp)

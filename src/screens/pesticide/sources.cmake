# The screens of pesticide.
list(APPEND TILLORA_SCREENS_SOURCES
  screens/pesticide/PesticideScreens.cpp
  screens/pesticide/frmChemiInput.cpp
  screens/pesticide/frmChemiList.cpp)

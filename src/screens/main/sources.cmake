# The screens of main.
list(APPEND TILLORA_SCREENS_SOURCES
  screens/main/BackupOffer.cpp
  screens/main/MainScreens.cpp
  screens/main/fmnMain.cpp
  screens/main/modMain.cpp)

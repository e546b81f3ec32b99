# The screens of diary.
list(APPEND TILLORA_SCREENS_SOURCES
  screens/diary/DiaryScreens.cpp
  screens/diary/frmDairyCal.cpp
  screens/diary/frmDairyInput.cpp
  screens/diary/frmDiaryLedgeInput.cpp)

# The rules of diary.
list(APPEND TILLORA_RULES_SOURCES
  rules/diary/BookPage.cpp
  rules/diary/CalMonth.cpp
  rules/diary/DiaryDay.cpp
  rules/diary/DiaryLists.cpp
  rules/diary/modOldCal.cpp)

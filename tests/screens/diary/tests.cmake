tillora_gui_test(tst_calendar screens/diary/tst_calendar.cpp)
tillora_gui_test(tst_dayentry screens/diary/tst_dayentry.cpp)
tillora_gui_test(tst_books screens/diary/tst_books.cpp)
tillora_gui_test(tst_spraywarn screens/diary/tst_spraywarn.cpp)

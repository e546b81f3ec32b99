tillora_gui_test(tst_dialogs screens/masters/tst_dialogs.cpp)
tillora_gui_test(tst_shopprd screens/masters/tst_shopprd.cpp)

tillora_gui_test(tst_startup screens/main/tst_startup.cpp)

tillora_gui_test(tst_screens ui/tst_screens.cpp)

tillora_gui_test(tst_planting screens/planting/tst_planting.cpp)

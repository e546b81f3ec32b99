tillora_gui_test(tst_shipping screens/shipping/tst_shipping.cpp)

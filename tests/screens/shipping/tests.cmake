# The screen tests of shipping.
tillora_gui_test(tst_shipscreens screens/shipping/tst_shipscreens.cpp)

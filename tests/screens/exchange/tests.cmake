# The screen tests of exchange.
tillora_gui_test(tst_exchange screens/exchange/tst_exchange.cpp)

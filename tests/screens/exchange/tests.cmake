# The screen tests of exchange.
tillora_gui_test(tst_exchange screens/exchange/tst_exchange.cpp)
tillora_uses_admin(tst_exchange)

tillora_gui_test(tst_print screens/print/tst_print.cpp)
tillora_gui_test(tst_pricetag screens/print/tst_pricetag.cpp)
tillora_uses_admin(tst_pricetag)
tillora_gui_test(tst_printer screens/print/tst_printer.cpp)

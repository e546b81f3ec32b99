tillora_gui_test(tst_ledger screens/books/tst_ledger.cpp)

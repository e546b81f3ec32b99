# Every screen driven by a bounded random user, a child process a screen.
tillora_gui_test(tst_fuzz screens/fuzz/tst_fuzz.cpp)
set_tests_properties(tst_fuzz PROPERTIES TIMEOUT 600)

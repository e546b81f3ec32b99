tillora_test(tst_values base/tst_values.cpp)
tillora_test(tst_helpers base/tst_helpers.cpp)
tillora_test(tst_datahome base/tst_datahome.cpp)

# The rules tests of print (no widgets).
tillora_rules_test(tst_symbols rules/print/tst_symbols.cpp)
tillora_rules_test(tst_printlayer rules/print/tst_printlayer.cpp)
tillora_rules_test(tst_tagsheet rules/print/tst_tagsheet.cpp)
# The rules tests of exchange, until tests/CMakeLists.txt includes
# rules/exchange/tests.cmake (then this line goes).
tillora_rules_test(tst_pricetagcsv rules/exchange/tst_pricetagcsv.cpp)

# The rules tests of exchange (no widgets).
tillora_rules_test(tst_pricetagcsv rules/exchange/tst_pricetagcsv.cpp)

# The rules tests of exchange (no widgets).
tillora_rules_test(tst_pricetagcsv rules/exchange/tst_pricetagcsv.cpp)
tillora_rules_test(tst_ftpupload rules/exchange/tst_ftpupload.cpp)
target_link_libraries(tst_ftpupload PRIVATE Qt6::Network) # a server that never answers
tillora_uses_admin(tst_ftpupload)

# The rules tests of exchange (no widgets).
tillora_rules_test(tst_pricetagcsv rules/exchange/tst_pricetagcsv.cpp)
# The production history: the report and the trace pages of a generated year (the benchmarks' generator).
tillora_rules_test(tst_trace rules/exchange/tst_trace.cpp ${PROJECT_SOURCE_DIR}/bench/generate.cpp)
target_include_directories(tst_trace PRIVATE ${PROJECT_SOURCE_DIR}/bench)
tillora_uses_admin(tst_trace)
tillora_rules_test(tst_ftpupload rules/exchange/tst_ftpupload.cpp)
target_link_libraries(tst_ftpupload PRIVATE Qt6::Network) # a server that never answers
tillora_uses_admin(tst_ftpupload)

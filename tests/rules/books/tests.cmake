# The rules tests of books (no widgets).
tillora_rules_test(tst_ledgerrules rules/books/tst_ledgerrules.cpp)
# The books against ten generated years (the benchmarks' generator) and hledger.
tillora_rules_test(tst_trialbalance rules/books/tst_trialbalance.cpp ${PROJECT_SOURCE_DIR}/bench/generate.cpp)
target_include_directories(tst_trialbalance PRIVATE ${PROJECT_SOURCE_DIR}/bench)
tillora_uses_admin(tst_trialbalance)

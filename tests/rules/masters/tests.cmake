# The rules tests of masters (no widgets).
tillora_rules_test(tst_masters rules/masters/tst_masters.cpp)

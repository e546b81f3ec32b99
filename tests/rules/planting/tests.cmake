# The rules tests of planting (no widgets).
tillora_rules_test(tst_plantdata rules/planting/tst_plantdata.cpp)

# The tests of every save the farmer starts (no widgets).
tillora_rules_test(tst_saves rules/common/tst_saves.cpp rules/common/SaveKinds.cpp)

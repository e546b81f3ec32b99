# The tests of every save the farmer starts (no widgets).
tillora_rules_test(tst_saves rules/common/tst_saves.cpp rules/common/SaveKinds.cpp)
# Killed saves: the binary runs itself as the child it kills.
tillora_rules_test(tst_crash rules/common/tst_crash.cpp rules/common/SaveKinds.cpp)

tillora_rules_test(tst_oldcal rules/diary/tst_oldcal.cpp)

# The rules tests of diary (no widgets).
tillora_rules_test(tst_oldcal rules/diary/tst_oldcal.cpp)
tillora_rules_test(tst_diaryday rules/diary/tst_diaryday.cpp)
tillora_rules_test(tst_bookpage rules/diary/tst_bookpage.cpp)
tillora_rules_test(tst_calmonth rules/diary/tst_calmonth.cpp)

# The rules tests of pesticide (no widgets).
tillora_rules_test(tst_chemi rules/pesticide/tst_chemi.cpp rules/pesticide/LotFixture.cpp)
tillora_rules_test(tst_spraycheck rules/pesticide/tst_spraycheck.cpp)
tillora_uses_admin(tst_spraycheck)

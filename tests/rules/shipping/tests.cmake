# The rules tests of shipping (no widgets).
tillora_rules_test(tst_shipping rules/shipping/tst_shipping.cpp)

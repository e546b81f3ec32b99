# The rules tests of print (no widgets).
tillora_rules_test(tst_symbols rules/print/tst_symbols.cpp)
tillora_rules_test(tst_printlayer rules/print/tst_printlayer.cpp)
tillora_rules_test(tst_tagsheet rules/print/tst_tagsheet.cpp)

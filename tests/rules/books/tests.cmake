# The rules tests of books (no widgets).
tillora_rules_test(tst_ledgerrules rules/books/tst_ledgerrules.cpp)

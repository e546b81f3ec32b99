# The rules tests of pesticide (no widgets).

# The rules tests of shipping (no widgets).

# The rules tests of masters (no widgets).

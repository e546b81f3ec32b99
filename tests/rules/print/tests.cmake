# The rules tests of print (no widgets).

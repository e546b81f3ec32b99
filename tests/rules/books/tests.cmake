# The rules tests of books (no widgets).

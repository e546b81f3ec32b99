# The rules tests of planting (no widgets).

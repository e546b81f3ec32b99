# The rules of masters.
list(APPEND TILLORA_RULES_SOURCES
  rules/masters/PrdMaster.cpp)

# The rules of masters.
list(APPEND TILLORA_RULES_SOURCES
  rules/masters/CodeMaster.cpp
  rules/masters/Defaults.cpp
  rules/masters/FmrMaster.cpp
  rules/masters/MasterLists.cpp
  rules/masters/PrdMaster.cpp
  rules/masters/Settings.cpp
  rules/masters/ShopMaster.cpp)

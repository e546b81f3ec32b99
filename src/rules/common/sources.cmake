# The rules of common.
list(APPEND TILLORA_RULES_SOURCES
  rules/common/Pictures.cpp
  rules/common/Lists.cpp
  rules/common/Record.cpp)

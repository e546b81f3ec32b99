# The rules of books.
list(APPEND TILLORA_RULES_SOURCES
  rules/books/Journal.cpp
  rules/books/Ledger.cpp
  rules/books/TrialBalance.cpp)

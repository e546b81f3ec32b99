# The rules of books.
list(APPEND TILLORA_RULES_SOURCES
  rules/books/BookReports.cpp
  rules/books/Journal.cpp
  rules/books/Ledger.cpp
  rules/books/TrialBalance.cpp)

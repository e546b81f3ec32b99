# The rules of print.
list(APPEND TILLORA_RULES_SOURCES
  rules/print/PageTarget.cpp
  rules/print/PainterTarget.cpp
  rules/print/PriceTag.cpp
  rules/print/PriceTagSheet.cpp
  rules/print/PrintTarget.cpp
  rules/print/Symbols.cpp
  rules/print/TablePages.cpp
  rules/print/TraceReport.cpp
  rules/print/modPrinter.cpp)

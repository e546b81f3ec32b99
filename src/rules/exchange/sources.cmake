# The rules of exchange.
list(APPEND TILLORA_RULES_SOURCES
  rules/exchange/FtpUpload.cpp
  rules/exchange/PriceTagCsv.cpp
  rules/exchange/TraceData.cpp
  rules/exchange/TraceHistory.cpp
  rules/exchange/TracePages.cpp
  rules/exchange/TraceUpload.cpp)

# The screens of exchange.
list(APPEND TILLORA_SCREENS_SOURCES
  screens/exchange/ExchangeScreens.cpp
  screens/exchange/TraceDialog.cpp
  screens/exchange/fdlExpPriceTag.cpp
  screens/exchange/fdlUploadTraceData.cpp)

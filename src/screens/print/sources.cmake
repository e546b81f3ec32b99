# The screens of print.
list(APPEND TILLORA_SCREENS_SOURCES
  screens/print/PrintScreens.cpp
  screens/print/Printer.cpp
  screens/print/fdlPreview.cpp
  screens/print/fdlPrintPriceTag.cpp
  screens/print/fdlPrintTraceRep.cpp
  screens/print/fdlSetMgn.cpp
  screens/print/fdlSetPrintCopy.cpp)

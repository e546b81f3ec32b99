# The screens of books.
list(APPEND TILLORA_SCREENS_SOURCES
  screens/books/BooksScreens.cpp
  screens/books/fdlPrintAccRep.cpp
  screens/books/frmLedgeInput.cpp
  screens/books/frmLedgeList.cpp)

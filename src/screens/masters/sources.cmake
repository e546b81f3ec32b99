# The screens of masters.
list(APPEND TILLORA_SCREENS_SOURCES
  screens/masters/CodeMasterDialog.cpp
  screens/masters/MasterScreens.cpp
  screens/masters/fdlMstFmrEdit.cpp
  screens/masters/fdlMstPrdEdit.cpp
  screens/masters/fdlMstShopEdit.cpp
  screens/masters/fdlSetConCtrl.cpp
  screens/masters/fdlSetLocalCtrl.cpp)

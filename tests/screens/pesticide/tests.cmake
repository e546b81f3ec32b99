tillora_gui_test(tst_pesticide screens/pesticide/tst_pesticide.cpp rules/pesticide/LotFixture.cpp)

tillora_test(tst_layers layers/tst_layers.cpp)
target_compile_definitions(tst_layers PRIVATE TILLORA_SOURCE_DIR="${PROJECT_SOURCE_DIR}")

# Both shader texts of a key.
trl20_bench(shadergen_text_bench shadergen_text_bench.cpp LIBS trl20_core fake_platform)

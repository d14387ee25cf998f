# The matrix functions beside GLM, when that is installed (optional).
trl20_bench(math_bench math_bench.cpp LIBS trl20_core fake_platform)
find_package(glm QUIET)
if(glm_FOUND)
  target_compile_definitions(math_bench PRIVATE TRL20_HAVE_GLM)
endif()

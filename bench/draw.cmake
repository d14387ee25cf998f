# Draws, program look-ups and state calls over a backend of empty functions and the real platform library.
trl20_bench(draw_bench draw_bench.cpp LIBS trl20_core empty_backend vsp)

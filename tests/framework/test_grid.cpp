int dummy_grid;

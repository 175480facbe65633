int dummy_screens;

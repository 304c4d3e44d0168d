#pragma once
// Smooth noise from 0 to 1, the same on every machine.

double noiseAt(double x, unsigned seed);
double noiseAt(double x, double y, unsigned seed);
// Octaves of it, each twice as fine and half as strong.
double fractalNoise(double x, unsigned seed, int octaves);
double fractalNoise(double x, double y, unsigned seed, int octaves);
// 0 up to from, 1 beginning with to, and soft in between.
double smoothStep(double from, double to, double value);

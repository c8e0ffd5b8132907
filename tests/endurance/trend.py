# SPDX-FileCopyrightText: 2026 Postal Scale contributors
# SPDX-License-Identifier: MIT
"""A line through samples, by least squares."""

import math


class Trend:
    def __init__(self):
        self._samples = []

    def add(self, x, y):
        self._samples.append((x, y))

    @property
    def slope(self):
        return self._covariance / self._variance

    @property
    def slope_error(self):
        """Standard error of the slope."""
        mean_x, mean_y = self._means
        residuals = sum((y - mean_y - self.slope * (x - mean_x)) ** 2 for x, y in self._samples)
        return math.sqrt(residuals / (len(self._samples) - 2) / self._variance)

    @property
    def _means(self):
        count = len(self._samples)
        return (sum(x for x, _ in self._samples) / count, sum(y for _, y in self._samples) / count)

    @property
    def _variance(self):
        mean_x, _ = self._means
        return sum((x - mean_x) ** 2 for x, _ in self._samples)

    @property
    def _covariance(self):
        mean_x, mean_y = self._means
        return sum((x - mean_x) * (y - mean_y) for x, y in self._samples)

# SPDX-License-Identifier: Apache-2.0
"""Tests of bench/compare: what it makes of measurements, over numbers that can be checked in the head."""
import unittest

import figures
import results
import runner


class Figures(unittest.TestCase):
    def test_the_median_of_an_odd_number_is_the_one_in_the_middle(self):
        self.assertEqual(figures.figure([9, 1, 5]), figures.Figure(5, 1, 9, 3))

    def test_the_median_of_an_even_number_is_between_the_two_in_the_middle(self):
        self.assertEqual(figures.figure([1, 2, 4, 100]).median, 3)

    def test_no_measurement_has_no_figure(self):
        with self.assertRaises(ValueError):
            figures.figure([])

    def test_a_ratio_is_taken_round_by_round(self):
        # 2, 1 and 4; the ratio of the medians would be 1
        self.assertEqual(figures.paired_ratio([10, 20, 40], [5, 20, 10]), figures.Figure(2, 1, 4, 3))

    def test_rounds_without_a_pair_have_no_ratio(self):
        with self.assertRaises(ValueError):
            figures.paired_ratio([1, 2], [1])

    def test_a_goal_is_met_at_its_limit_and_missed_beyond_it(self):
        figure = figures.figure([2])
        self.assertEqual([figure.meets(">=", 2), figure.meets(">=", 2.1), figure.meets("<=", 2), figure.meets("<=", 1.9)],
                         [True, False, True, False])

    def test_a_goal_without_a_side_is_refused(self):
        with self.assertRaises(ValueError):
            figures.figure([2]).meets("=", 2)

    def test_the_slope_of_points_on_a_line_is_the_line_s(self):
        self.assertEqual(figures.slope([(1, 5), (2, 8), (3, 11)]), 3)

    def test_the_slope_of_points_around_a_line_is_the_one_of_least_squares(self):
        # x around 1: -1, 0, 1; y: 0, 3, 2; (0 + 0 + 2) / 2
        self.assertEqual(figures.slope([(0, 0), (1, 3), (2, 2)]), 1)

    def test_one_x_has_no_slope(self):
        with self.assertRaises(ValueError):
            figures.slope([(1, 1), (1, 2)])


class FakeServer:
    """Uses half a second for each turn."""
    def __init__(self):
        self._asked = 0

    def cpu_seconds(self):
        self._asked += 1
        return 0.5 * (self._asked // 2)


class Alternation(unittest.TestCase):
    def setUp(self):
        self.order = []
        contestants = [self.contestant("a", runner.Measurement(100, 2, 1)), self.contestant("b", runner.Measurement(50, 2, 1))]
        self.turns = runner.alternate(contestants, 2, FakeServer(), lambda text: None)

    def contestant(self, name, measurement):
        def turn():
            self.order.append(name)
            return measurement
        return runner.Contestant(name, name, turn, lambda: self.order.append(f"prepare {name}"))

    def test_contestants_take_turns_and_are_prepared_before_each(self):
        self.assertEqual(self.order, ["prepare a", "a", "prepare b", "b"] * 2)

    def test_a_turn_tells_its_rate_and_processor_time_a_unit(self):
        self.assertEqual(self.turns["b"], [runner.Turn(25, 20000, 10000)] * 2)

    def test_ratios_are_of_rates_and_of_processor_times(self):
        self.assertEqual(runner.rate_ratio(self.turns, "a", "b").median, 2)
        self.assertEqual(runner.client_cpu_ratio(self.turns, "a", "b").median, 0.5)


class Texts(unittest.TestCase):
    def test_numbers_have_three_digits_and_thousands_are_grouped(self):
        self.assertEqual([results.number(value) for value in (0.847, 12.34, 123.4, 61234.5)],
                         ["0.85", "12.3", "123", "61,234"])

    def test_a_goal_says_whether_it_is_met(self):
        goal = results.Goal("a", "b", ">=", 0.85, figures.figure([0.8, 0.9, 1.0])).as_json()
        self.assertEqual(results.goal_text(goal), "0.90 (0.80 to 1.00), goal >= 0.85: met")


if __name__ == "__main__":
    unittest.main()

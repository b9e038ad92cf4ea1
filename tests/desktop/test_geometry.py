# SPDX-License-Identifier: MIT
"""The shelf's position and size on a real screen, measured from outside."""
from support.case import DesktopTest
from support.waiting import stays
from support.windows import Frame


class GeometryTest(DesktopTest):
    def assert_frame(self, expected):
        self.wait_for(lambda: self.app.frame() == expected, f"the shelf covers {expected}, not {self.app.frame()}")

    def test_the_empty_shelf_sits_in_the_middle_of_the_right_edge(self):
        self.parklet().show()
        self.assert_frame(Frame(1160, 318, 116, 164))

    def test_the_shelf_grows_with_its_items(self):
        self.parklet().hold(*self.files(3))
        self.assert_frame(Frame(1160, 210, 116, 380))

    def test_two_items_lie_in_a_row_on_the_bottom_edge(self):
        self.parklet(windowEdge=3, windowAlignment=0, fileNameDisplay=1).hold(*self.files(2))
        frame = self.wait_for(self.app.frame, "the shelf is on screen")
        self.assertEqual((frame.x, frame.width), (20, 239))
        self.assertEqual(frame.y + frame.height, 800 - 4)

    def test_the_top_edge_and_the_far_alignment(self):
        self.parklet(windowEdge=2, windowAlignment=2).hold(*self.files(2))
        frame = self.wait_for(self.app.frame, "the shelf is on screen")
        self.assertEqual((frame.x + frame.width, frame.y, frame.width), (1280 - 20, 4, 239))

    def test_the_left_edge_and_the_near_alignment(self):
        self.parklet(windowEdge=0, windowAlignment=0).hold(*self.files(1))
        self.assert_frame(Frame(4, 20, 116, 164))

    def test_a_crowded_shelf_keeps_to_the_screen(self):
        self.parklet().hold(*self.files(12))
        frame = self.wait_for(self.app.frame, "the shelf is on screen")
        self.assertEqual((frame.x, frame.width, frame.height), (1160, 116, 800 - 8))

    def test_dragging_its_background_moves_nothing(self):
        app = self.parklet()
        app.show()
        frame = app.frame()
        # The points are beside the label, and between two buttons.
        for x, y in ((frame.x + 12, frame.y + frame.height - 20), (frame.x + 38, frame.y + 20)):
            self.hand.drag((x, y), (x - 300, y - 60), linger=0, begins=False)
            stays(lambda: app.frame() == frame, "the shelf moved", 0.5)
        self.assertEqual(app.names(), [])


class HighScreenTest(DesktopTest):
    screen = {"width": 1280, "height": 2000}

    def test_an_eleventh_item_scrolls(self):
        self.parklet().hold(*self.files(11))
        self.wait_for(lambda: self.app.frame() == Frame(1160, 432, 116, 1136),
                      f"the shelf has room for ten, not {self.app.frame()}")

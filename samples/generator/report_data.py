"""The figures of the sample report, all invented, and the sheet of them that is attached to it."""

import csv
import io

YEARS = (2017, 2018, 2019, 2020, 2021, 2022, 2023)

# Metres of shelf taken in, by origin.
ACCESSIONS = {
    "Courts": (64, 71, 58, 22, 47, 69, 83),
    "Municipal offices": (112, 98, 121, 64, 88, 130, 117),
    "Parishes": (18, 24, 21, 9, 12, 26, 31),
    "Firms and trades": (37, 29, 45, 30, 52, 41, 60),
    "Private papers": (14, 19, 11, 16, 23, 20, 27),
}

# Visits to the reading room by month.
VISITS_2022 = (212, 248, 291, 260, 302, 287, 344, 361, 295, 318, 276, 171)
VISITS_2023 = (251, 279, 318, 274, 341, 330, 402, 418, 352, 371, 309, 188)
MONTHS = ("Jan", "Feb", "Mar", "Apr", "May", "Jun", "Jul", "Aug", "Sep", "Oct", "Nov", "Dec")

# Series, items, images, share accepted at first delivery in per cent.
DIGITISED = [
    ("Tithe maps and apportionments", 168, 5_204, 99.1),
    ("Harbour commissioners, letter books", 134, 61_870, 98.4),
    ("Quarter sessions, order books", 96, 48_312, 97.6),
    ("Admission registers, Brenning union", 74, 29_140, 98.9),
    ("Glass negatives, Tarrant studio", 1_215, 1_215, 99.7),
    ("Building plans, 1868 to 1880", 642, 3_980, 96.2),
]

# What was treated, pieces, hours.
CONSERVATION = [
    ("Leaves cleaned and flattened", 8_460, 1_120),
    ("Tears mended", 2_315, 640),
    ("Bindings repaired", 88, 705),
    ("Seals consolidated", 41, 120),
    ("Maps lined anew", 23, 310),
    ("Boxes made to measure", 1_904, 480),
]

# Heading, budget, outcome, in thousands of crowns.
INCOME = [
    ("County grant", 2_150, 2_150),
    ("Fees and copies", 145, 168),
    ("Foundations", 220, 264),
    ("Friends of the Archive", 35, 41),
]
EXPENSES = [
    ("Salaries", 1_540, 1_522),
    ("Building, heat and light", 318, 361),
    ("Digitisation", 360, 352),
    ("Conservation", 142, 149),
    ("Books and licences", 78, 74),
    ("Events and printing", 64, 69),
]

STAFF = [
    ("Archivists", 6, 5.5),
    ("Reading room", 5, 4.2),
    ("Conservators", 4, 3.4),
    ("Digitisation", 5, 4.6),
    ("Stores and house", 3, 3.0),
    ("Administration", 2, 1.5),
]

# Store, capacity in metres, filled in metres.
STORES = [
    ("Customs Quay, vault", 2_400, 2_395),
    ("Customs Quay, upper floors", 3_150, 3_020),
    ("Mill Lane, store 1", 1_900, 640),
    ("Mill Lane, store 2", 2_850, 410),
    ("Lower Brenning (hired)", 1_200, 1_144),
]


def sheet():
    """The figures behind the charts, as text with commas."""
    text = io.StringIO()
    writer = csv.writer(text, lineterminator="\r\n")
    writer.writerow(["metres taken in", *YEARS])
    for origin, metres in ACCESSIONS.items():
        writer.writerow([origin, *metres])
    writer.writerow([])
    writer.writerow(["visits", *MONTHS])
    writer.writerow([2022, *VISITS_2022])
    writer.writerow([2023, *VISITS_2023])
    writer.writerow([])
    writer.writerow(["series", "items", "images", "accepted at first delivery"])
    writer.writerows(DIGITISED)
    return text.getvalue()

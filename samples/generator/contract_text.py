"""The wording of the sample contract: articles, each with its numbered clauses."""

TITLE = "Agreement for the Storage and Digitisation of Records"

PARTIES = [
    (
        "<b>Saltmere County Archive</b>, a body of the County of Saltmere, with its seat at 4 Customs Quay, "
        "Saltmere, represented by its County Archivist, Dr Ottilie Farraday (the “<b>Archive</b>”);"
    ),
    (
        "<b>Pellworth Document Services Ltd</b>, a company with its registered office at 18 Tannery Row, "
        "Lower Brenning, represented by its managing director, Mr Ansel Pellworth (the “<b>Contractor</b>”)."
    ),
]

RECITALS = [
    (
        "The Archive keeps the records of the County from 1611 to the present day. Part of them, described in "
        "Schedule 1, lies in a building that has to be emptied before its roof is renewed."
    ),
    (
        "The Contractor runs a climate-controlled repository at Lower Brenning and a workshop in which bound "
        "and loose papers are photographed without being taken apart."
    ),
    (
        "The Archive wishes to have those records stored for the time of the works and, while they are there, "
        "to have the most used series among them digitised. The Contractor is willing to do both."
    ),
]

# (title, bookmark closed at first, [(clause heading, text or list of texts)])
ARTICLES = [
    (
        "Definitions and interpretation",
        False,
        [
            (
                "Definitions",
                [
                    (
                        "“<b>Box</b>” means an archival box of the pattern shown in Schedule 1, whatever it holds; "
                        "“<b>Item</b>” means a volume, a file, a map or a bundle that bears a shelf mark of its own; "
                        "“<b>Image</b>” means one exposure of one page or opening, with the data that describe it; and "
                        "“<b>Repository</b>” means rooms 3 to 7 of the Contractor’s building at Lower Brenning."
                    ),
                    (
                        "“<b>Working day</b>” means a day other than a Saturday, a Sunday or a public holiday in "
                        "the County, counted from 08:00 to 18:00."
                    ),
                ],
            ),
            (
                "Interpretation",
                [
                    (
                        "Headings serve to find a clause and not to read it. A reference to a Schedule is to a "
                        "schedule of this Agreement, and the Schedules are part of it. Where a Schedule and a clause "
                        "say different things, the clause prevails."
                    )
                ],
            ),
        ],
    ),
    (
        "Transfer of the records",
        True,
        [
            (
                "Inventory",
                [
                    (
                        "Before the first journey the parties count the Boxes together, room by room, and write the "
                        "count down in an inventory in two copies. Each copy is numbered on every page and signed on "
                        "the last. A Box that is in the inventory is presumed to have been handed over."
                    )
                ],
            ),
            (
                "Carriage",
                [
                    (
                        "The Contractor carries the Boxes in closed vehicles, upright, on trolleys that are fixed to "
                        "the floor, and never leaves a loaded vehicle unattended. Maps larger than A1 travel flat. The "
                        "temperature of the load stays between 12 and 22 degrees Celsius."
                    ),
                    (
                        "A journey that cannot be finished on the day on which it began ends at the Archive, not on "
                        "the road."
                    ),
                ],
            ),
            (
                "Receipt",
                [
                    (
                        "Within two Working days of each journey the Contractor confirms in writing which Boxes have "
                        "arrived and on which shelf each of them stands. Damage that can be seen from outside is noted "
                        "in that confirmation; damage that shows only on opening is reported when it is found."
                    )
                ],
            ),
        ],
    ),
    (
        "Storage",
        False,
        [
            (
                "Climate",
                [
                    (
                        "The Contractor keeps the Repository at 16 degrees Celsius, give or take two degrees, and at a "
                        "relative humidity of 45 to 55 per cent. Readings are taken every fifteen minutes by "
                        "instruments that are calibrated once a year, and are kept for the term of this Agreement."
                    ),
                    (
                        "If the readings of any room leave those bounds for more than six hours, the Contractor "
                        "informs the Archive on the same day, with the cause and the remedy."
                    ),
                ],
            ),
            (
                "Security and fire",
                [
                    (
                        "Only persons named on a list approved by the Archive enter the Repository. Doors are alarmed "
                        "at all hours. The gas that is used to put out fires must be harmless to parchment, to iron "
                        "gall ink and to photographs; water sprinklers are not allowed above the shelves."
                    )
                ],
            ),
            (
                "Access",
                [
                    (
                        "The Archive may visit the Repository on any Working day after a call of one hour. An Item that "
                        "a reader needs is brought to Customs Quay by the next Working day if it is asked for before "
                        "noon, and by the one after it otherwise."
                    )
                ],
            ),
        ],
    ),
    (
        "Digitisation",
        True,
        [
            (
                "Scope and order",
                [
                    (
                        "The series marked with an asterisk in Schedule 1 are digitised in the order in which they are "
                        "listed there. The Archive may change the order by notice of ten Working days, as long as the "
                        "number of Images stays the same within five in a hundred."
                    )
                ],
            ),
            (
                "Handling",
                [
                    (
                        "Volumes are opened to no more than 110 degrees and rest on cradles. No binding is cut, no seal "
                        "is removed, no fold is ironed. Pins and clips are taken out only if they have to be, and each "
                        "one is recorded. An Item that cannot be photographed without harm goes back to its Box with "
                        "a slip that says why."
                    )
                ],
            ),
            (
                "Quality of Images",
                [
                    (
                        "Every Image shows the whole page with a margin of at least five millimetres, a scale and a "
                        "colour target, at no less than 400 samples to the inch, in 16 bits a channel. It is sharp from "
                        "corner to corner, and its colours differ from the target by no more than two units on average."
                    ),
                    (
                        "The Contractor delivers a preservation master of each Image and, for each Item, one document "
                        "for readers, whose pages bear the shelf mark at the head and a running number at the foot."
                    ),
                ],
            ),
            (
                "Acceptance",
                [
                    (
                        "The Archive examines one Image in fifty of each delivery. If more than one in a hundred of "
                        "those fails, the delivery is returned and made anew at the Contractor’s cost. A delivery that "
                        "has not been returned within thirty days is accepted."
                    )
                ],
            ),
        ],
    ),
    (
        "Fees and payment",
        False,
        [
            (
                "Fees",
                [
                    (
                        "The fees are those of Schedule 2. They cover all work under this Agreement, boxes, carriage, "
                        "light, heat and insurance included, and are fixed for the first two years. From the third year "
                        "on they follow the County’s index of wages, once a year, in April."
                    )
                ],
            ),
            (
                "Invoices",
                [
                    (
                        "The Contractor invoices storage every quarter in arrears and digitisation after acceptance. "
                        "Invoices that are in order are paid within thirty days. On a sum paid late, interest runs at "
                        "four per cent a year over the base rate of the day."
                    )
                ],
            ),
        ],
    ),
    (
        "Ownership, data and confidence",
        True,
        [
            (
                "Ownership",
                [
                    (
                        "The records are and remain property of the County. The Contractor has no lien on them, for "
                        "whatever claim. All rights in the Images belong to the Archive from the moment of exposure."
                    )
                ],
            ),
            (
                "Personal data",
                [
                    (
                        "Some series name persons who may be alive. The Contractor processes what is in them only as "
                        "the Archive instructs, keeps it on machines in the County, and deletes every copy sixty days "
                        "after the acceptance of the last delivery."
                    )
                ],
            ),
            (
                "Confidence",
                [
                    (
                        "What a party learns of the other’s affairs through this Agreement it keeps to itself for five "
                        "years after the end of it, unless the law demands otherwise."
                    )
                ],
            ),
        ],
    ),
    (
        "Liability and insurance",
        True,
        [
            (
                "Liability",
                [
                    (
                        "The Contractor answers for loss of and damage to Items from the moment a Box is lifted at "
                        "Customs Quay until it stands there again. It is free of that liability only so far as it shows "
                        "that a careful keeper could not have prevented the harm."
                    )
                ],
            ),
            (
                "Insurance",
                [
                    (
                        "For the whole of that time the Contractor insures the records against fire, water, theft and "
                        "accident for the sum of 2,400,000 crowns, names the Archive as the one to be paid, and "
                        "shows the policy on request."
                    )
                ],
            ),
        ],
    ),
    (
        "Term and general matters",
        False,
        [
            (
                "Term and notice",
                [
                    (
                        "This Agreement begins on 1 May 2024 and runs for four years. Either party may end it by six "
                        "months’ notice to the end of a quarter, and at once for good cause, above all if the records "
                        "are in danger. The fees earned until then are due; others are not."
                    )
                ],
            ),
            (
                "Return",
                [
                    (
                        "At the end of the term the Contractor brings all Boxes back within forty Working days, in the "
                        "order of the inventory, at no further charge. Clauses 2.1 to 2.3 hold for the way back."
                    )
                ],
            ),
            (
                "Law and courts",
                [
                    (
                        "This Agreement is governed by the law of the County. Before going to court the parties try to "
                        "settle a dispute with a mediator on whom they agree, or who is named by the Chamber of "
                        "Notaries within two weeks. The courts of Saltmere decide what remains."
                    )
                ],
            ),
            (
                "Form and completeness",
                [
                    (
                        "Changes to this Agreement are made in writing, this clause included. If a clause is void the "
                        "others stand, and the parties replace it by one that comes nearest to what they meant."
                    )
                ],
            ),
        ],
    ),
]

# Series, years, boxes, metres of shelf; an asterisk marks the series that are digitised.
RECORDS = [
    ("Quarter sessions, order books *", "1611–1888", 212, 31.8),
    ("Quarter sessions, rolls", "1640–1842", 540, 81.0),
    ("Tithe maps and apportionments *", "1836–1851", 168, 42.0),
    ("Harbour commissioners, letter books *", "1722–1914", 134, 20.1),
    ("Poor law unions, admission registers *", "1834–1930", 291, 43.7),
    ("Turnpike trusts, accounts", "1749–1877", 76, 11.4),
    ("Coroner, inquest files", "1801–1926", 318, 47.7),
    ("Building plans, borough surveyor *", "1868–1947", 405, 101.3),
]

# Service, unit, crowns.
FEES = [
    ("Packing, carriage and first shelving", "Box", "4.20"),
    ("Storage", "Box and quarter", "1.15"),
    ("Fetching and return of an Item", "journey", "38.00"),
    ("Image of a bound page or opening", "Image", "0.46"),
    ("Image of a loose sheet up to A3", "Image", "0.31"),
    ("Image of a map or plan over A3", "Image", "6.80"),
    ("Document for readers, with text recognition", "Item", "2.75"),
]

# Stage, what is done in it, from, to.
STAGES = [
    ("1", "Inventory, room by room, and labelling of all Boxes", "2 May 2024", "24 May 2024"),
    ("2", "Carriage of the rolls, files and registers", "27 May 2024", "14 June 2024"),
    ("3", "Carriage of maps and plans, flat", "17 June 2024", "28 June 2024"),
    ("4", "Order books and letter books: trial delivery of 20 Items", "1 July 2024", "19 July 2024"),
    ("5", "Order books and letter books: the rest", "2 September 2024", "30 May 2025"),
    ("6", "Tithe maps and apportionments", "2 June 2025", "27 February 2026"),
    ("7", "Admission registers", "2 March 2026", "29 January 2027"),
    ("8", "Building plans", "1 February 2027", "28 January 2028"),
    ("9", "Return of all Boxes to Customs Quay", "1 March 2028", "28 April 2028"),
]

SIGNING = (
    "This Agreement is signed in two copies, of which each party receives one. Each copy has the same number of "
    "pages; the pages are numbered at the foot by the County Archivist before signing, the Schedules included."
)

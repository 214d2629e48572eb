-- The Marlo settings library: an empty one of these is the template (instdbxx.tmp) every new
-- library is copied from. Dates are stored as ISO dates (yyyy-mm-dd), yes/no values as 0/1.
-- Columns accept nulls and empty texts: the program always writes values, but a library made
-- elsewhere may hold nulls, and reading them is the program's business.

CREATE TABLE ta_SetsTemplate (
    ID              TEXT NOT NULL UNIQUE,
    ParentID        TEXT,
    Version         TEXT,
    lShotTime       INTEGER,
    lDwellTime      INTEGER,
    lCycleTimeOpen  INTEGER,
    lLoadTime       INTEGER,
    lCycleTimeClose INTEGER,
    lGameTime       INTEGER,
    lFiringMode     INTEGER,
    sName           TEXT,
    dtDate          TEXT,
    bCTCLikeCTO     INTEGER,
    bExpertMode     INTEGER,
    bAlertOne       INTEGER,
    bAlertTwo       INTEGER,
    lAlertOne       INTEGER,
    lAlertTwo       INTEGER
);

CREATE TABLE ta_UserVar (
    ID       TEXT NOT NULL UNIQUE,
    ParentID TEXT,
    Version  TEXT,
    sName    TEXT,
    sValue   TEXT
);

-- Every setting loads its variables by ParentID.
CREATE INDEX ix_UserVar_ParentID ON ta_UserVar (ParentID);

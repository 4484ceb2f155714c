// CKSLDBParser: the record-level reader with duplicate checks.

#pragma once

// What a node is.
enum xmlType {
    xmlTypeNone = 0,
    xmlTypeElement = 1,
    xmlTypeText = 2,
    xmlTypeComment = 3,
    xmlTypeInstruction = 4, // processing instruction
    xmlTypeData = 5,        // CDATA section
    xmlTypeEntity = 6,      // reference to an entity that the document does not define
    xmlTypeDocType = 7,
    xmlTypeDocument = 8
};

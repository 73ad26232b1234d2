// Numbers of the pictures that a tree list brings with it, for SetItemImage and the images of columns.
#pragma once

/// A number past the last one draws nothing.
enum TreeListImage : int {
    kImageItem = 0, ///< a sheet: anything
    kImageFolder,
    kImageNetwork, ///< sections that meet
    kImageBranch,
    kImageSection, ///< a length of pipe
    kImageManhole, ///< its cover
    kImageOutfall,
    kImageArea, ///< a catchment area
    kImageHouse,
    kImageIndustrial,
    kImageRain,
    kImageWarning,
    kImageError,
    kImageGood,
    kTreeListImages,
};

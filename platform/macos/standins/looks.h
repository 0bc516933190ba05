#pragma once

#import <AppKit/AppKit.h>

// What AppKit's fonts, appearances and pictures are made of, for stand-ins that show it.

@interface NSFont ()
@property CGFloat size;
@property NSFontWeight weight;
@end

@interface NSAppearance ()
@property(strong) NSString* name;
@end

@interface NSImage ()
@property CGImageRef picture;
@property NSSize size;
@end

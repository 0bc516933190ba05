#pragma once

#include <string>

/// Runs of the driver that are given bytes, on a simulated Mac of their own, with every judge of
/// generated cases.
namespace fuzz {

/// A command line: a word a line. Lines ahead of it that begin with "CU_" or "ZENTROVE_" and have
/// an equals sign are variables.
std::string complaintAboutArguments(const std::string& input);

/// What a capture service reads, in pieces that end with each line feed.
std::string complaintAboutService(const std::string& input);

/// What a lock guard reads, in pieces that end anywhere.
std::string complaintAboutGuardInput(const std::string& input);

/// The bytes of a user's picture, and the same as what the directory's tool says of the user.
std::string complaintAboutPhoto(const std::string& input);

}  // namespace fuzz

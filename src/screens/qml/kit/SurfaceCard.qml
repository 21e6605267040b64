import Quorl

Card {}
